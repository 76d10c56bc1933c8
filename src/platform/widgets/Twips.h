#pragma once

// The forms are measured in twips; the screen here has 96 dots per inch, 15 twips a pixel.
constexpr int TwipsPerPixel = 15;
