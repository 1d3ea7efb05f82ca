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

/// What the stages of the tour hand on to each other, in the order in which they do.
struct Tour {
    Options Asked;
    std::string Archive;  ///< path of the file that holds all that is read
    Settings Said{};      ///< by the scene file
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

    ZmRay Mouse{};  ///< from the eye through the point that was asked for
    PickedTriangle Picked;
    std::vector<std::string> Files;  ///< the pictures that were written

    struct StageTime {
        const char* Stage;
        float Milliseconds;
    };
    std::vector<StageTime> Times;
    std::string Error;  ///< why the last stage has failed
};
