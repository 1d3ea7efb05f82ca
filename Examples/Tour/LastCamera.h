#pragma once

#include "Settings.h"

/// The camera of the user's last tour; false if that had its scene's, or there was none.
bool RecallCamera(CameraSettings& res);

/// For the user's next tour; null for the scene's own.
void RememberCamera(const CameraSettings* camera);
