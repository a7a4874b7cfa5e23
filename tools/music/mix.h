// From parts to the finished track.
#pragma once

#include "song.h"

#include <string>

// Leaves the level of every part as it is heard in the song's parts. `only` silences all parts but one.
void mix(Song& song, const std::string& only, Ring (&master)[2]);
