// The system's picture services, for as long as a test program runs.
#include "platform/image.h"

#include <gtest/gtest.h>

namespace {

class ImageDecoding : public testing::Environment {
    void SetUp() override { startImageDecoding(); }
    void TearDown() override { stopImageDecoding(); }
};

const testing::Environment* const kImageDecoding = testing::AddGlobalTestEnvironment(new ImageDecoding());

} // namespace
