#pragma once

#include "Scene.h"
#include "Shading.h"

#include <string>

/// A finished picture, packed as by RGBAFTOCOLOR.
struct Picture {
    int Width = 0, Height = 0;
    std::vector<uint32_t> Pixels;
    std::vector<float> Nearness;  ///< 1 / distance along the camera's direction, at the pixel centre
};

/// Counts of the work done for a picture.
struct DrawCounts {
    size_t Vertices = 0;   ///< transformed; a model counts once per strip that it touches
    size_t Triangles = 0;  ///< of all visible models
};

/// Draws the visible models in strips with several samples per pixel: transforms, rasterises, lights and averages them.
/// Threads share the strips and have buffers of their own; the picture is the same for any number of threads.
Picture DrawPicture(const Scene& scene, const std::vector<VisibleModel>& visible, const ZmMatrix& worldToClip,
                    const Shading& shading, int width, int height, int threads, DrawCounts& counts);
