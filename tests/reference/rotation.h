// A second opinion on turned images: per pixel, in 64-bit integers and doubles.
#pragma once
#include <PxbLib.h>

// Sine and cosine of an angle, before the cosine is cut to 0.
struct Turn {
    int32_t angle;
    double sine, cosine;
};

// Writes into dst what PxbRotate(&dst, &src, turn.angle) must write there, companions apart. The
// floating-point unit computes with 53 bits and rounds to nearest.
void RotateByReference(const ImageBuffer& dst, const ImageBuffer& src, Turn turn);
