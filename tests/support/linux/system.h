// What the system offers to tests.
#pragma once

constexpr bool kDecodesWebP = true;
