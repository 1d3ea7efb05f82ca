#pragma once

/// Each function draws one picture into the current folder and returns whether it could be saved.
bool DrawRows();
bool DrawProducts();
bool DrawRotations();
bool DrawEulerOrder();
bool DrawHandedness();
bool DrawCameras();
bool DrawClipSpace();
bool DrawDepths();
bool DrawScreenSpace();
bool DrawPixelLayouts();
bool DrawLines();
bool DrawFilters();
bool DrawLight();
bool DrawNormalLevels();
