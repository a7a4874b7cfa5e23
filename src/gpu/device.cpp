#include "gpu/device.h"

Device createDevice() {
    Device device;
    device.quad = createQuad();
    return device;
}

void deleteDevice(Device& device) {
    deleteTextures(device.textures);
    deletePrograms(device.programs);
    deleteQuad(device.quad);
}
