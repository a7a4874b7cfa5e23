#include "text/pictures.h"

TextureInfo loadPicture(const std::string& path) {
    return loadTexture(path);
}
