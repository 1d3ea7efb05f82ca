#pragma once

#include "Scene.h"
#include "Shading.h"

#include <string>

/// A finished picture, packed as by RGBAFTOCOLOR.
struct Picture {
    int width = 0, height = 0;
    std::vector<uint32_t> pixels;
    std::vector<float> nearness;  ///< 1 / distance along the camera's direction, at the pixel centre
};

/// Counts of the work done for a picture.
struct DrawCounts {
    size_t vertices = 0;   ///< transformed; a model counts once per strip that it touches
    size_t triangles = 0;  ///< of all visible models
};

/// Draws the visible models in strips with several samples per pixel: transforms, rasterises, lights and averages them.
/// Threads share the strips and have buffers of their own; the picture is the same for any number of threads.
Picture DrawPicture(const Scene& scene, const std::vector<VisibleModel>& visible, const ZmMatrix& worldToClip,
                    const Shading& shading, int width, int height, int threads, DrawCounts& counts);
