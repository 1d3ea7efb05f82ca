#pragma once

#include "Pick.h"
#include "Picture.h"
#include "Scene.h"

#include <string>

/// What main() measured, in milliseconds.
struct StageTimes {
    float Load, Build, Shadows, Draw, Pick, Overlay, Save;
};

/// Prints the report, bulk transforms on both paths included; those take a moment.
void PrintReport(const Mesh& statue, const Scene& scene, size_t visibleModels, const Picture& picture,
                 const DrawCounts& counts, const PickedTriangle& picked, const StageTimes& times,
                 const std::string& path);
