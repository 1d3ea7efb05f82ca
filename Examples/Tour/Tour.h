#pragma once

#include "Options.h"
#include "Pick.h"
#include "Picture.h"
#include "Relief.h"
#include "Scene.h"

#include <deque>
#include <string>
#include <vector>

enum class CameraSource {
    SCENE,
    COMMAND_LINE,
    LAST_TOUR
};

/// The data that the stages of the tour pass on, in the order of the stages.
struct Tour {
    Options Asked;
    std::string Archive;  ///< path of the archive that holds all input files
    Settings Said{};      ///< from the scene file
    CameraSource CameraOf = CameraSource::SCENE;
    Mesh Statue;
    Relief Pebbles;
    Scene Meadow;
    ZmMatrix WorldToClip;
    std::vector<VisibleModel> Visible;

    int Threads = 1;
    Picture Drawn;
    DrawCounts Counts;
    float FrameOnAll = 0, FrameOnOne = 0;  ///< milliseconds

    ZmRay Mouse{};  ///< from the eye through the requested point
    PickedTriangle Picked;
    std::vector<std::string> Files;  ///< the pictures written

    struct StageTime {
        const char* Stage;
        float Milliseconds;
    };
    std::vector<StageTime> Times;
    std::string Error;  ///< why the last stage failed
};
