#pragma once

#include "Settings.h"

/// The camera of the user's last tour. Returns false if there was none, or if that tour used the camera of its scene.
bool RecallCamera(CameraSettings& res);

/// Stores the camera for the user's next tour; null for the scene's own.
void RememberCamera(const CameraSettings* camera);
