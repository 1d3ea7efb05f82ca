#pragma once

#include "ZmVector.h"

struct ZmSphere {
    ZmVector Center;
    float Radius;
};
