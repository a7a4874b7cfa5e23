// What a GL context holds for a show: programs by their sources, textures by their keys, the quad. Knows no entry,
// can be thrown away and made anew.
#pragma once

#include "gpu/program_table.h"
#include "gpu/quad.h"
#include "gpu/textures.h"

struct Device {
    ProgramTable programs;
    TextureCache textures;
    Quad quad;
};

// Needs a current context, and its function table loaded.
Device createDevice();

// Deletes all of it, when nothing draws any more, and resets the record.
void deleteDevice(Device& device);
