// Timelines of shows in a temporary folder, with the common shaders.
#pragma once

#include "support/effect_fixture.h"
#include "support/log_capture.h"

#include "timeline/frame.h"

class TimelineFixture : public EffectFixture {
protected:
    void SetUp() override {
        EffectFixture::SetUp();
        writeCommonShaders();
    }

    void TearDown() override {
        releaseTimeline(timeline);
        EffectFixture::TearDown();
    }

    void load(const std::string& json) {
        const LogCapture quiet;
        config = loadRuntimeConfig(show.write("config.json", json), {nullptr, resolveShaderSources});
        if (config.nativeRuntime) {
            loadTimeline(timeline, config, kWidth, kHeight);
        } else {
            loadScene(timeline, config, 0, kWidth, kHeight);
        }
    }

    RuntimeConfig config;
    Timeline timeline;
    PlayLog log;
};
