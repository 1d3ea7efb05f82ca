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
    Options asked;
    std::string archive;  ///< path of the archive that holds all input files
    Settings said{};      ///< from the scene file
    CameraSource cameraOf = CameraSource::SCENE;
    Mesh statue;
    Relief pebbles;
    Scene meadow;
    ZmMatrix worldToClip;
    std::vector<VisibleModel> visible;

    int threads = 1;
    Picture drawn;
    DrawCounts counts;
    float frameOnAll = 0, frameOnOne = 0;  ///< milliseconds

    ZmRay mouse{};  ///< from the eye through the requested point
    PickedTriangle picked;
    size_t dancers = 0, skinned = 0;  ///< copies that move, and all their vertices
    float posing = 0;                 ///< milliseconds to pose all of them
    std::vector<std::string> files;   ///< the pictures written

    struct StageTime {
        const char* stage;
        float milliseconds;
    };
    std::vector<StageTime> times;
    std::string error;  ///< why the last stage failed
};
