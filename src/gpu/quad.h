// The full-screen quad that every pass shares: two triangles over clip space -1..1, texture coordinates
// 0..1, position at attribute location 0 and texture coordinates at 1.
#pragma once

void createQuad();
void drawQuad(); // with the current program, target and state
void deleteQuad();
