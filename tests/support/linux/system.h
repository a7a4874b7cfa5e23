// What the system offers to tests.
#pragma once

constexpr bool kDecodesWebP = true;
constexpr bool kRootIsAbsolute = true; // "/a" stands on its own
