#include "LastCamera.h"

#include "ZmConfig.h"

namespace {

constexpr char kSection[] = "Tour", kEntry[] = "Camera";

}  // namespace

bool RecallCamera(CameraSettings& res)
{
    ZmConfig store;
    char text[ZmConfig::kMaxValue];
    store.OpenSection(kSection, ZmConfig::MODE_READ);
    return store.ReadStringEntry(kEntry, text) > 0 && ReadCamera(text, res);
}

void RememberCamera(const CameraSettings* camera)
{
    ZmConfig store;
    store.OpenSection(kSection, ZmConfig::MODE_READWRITE);
    store.WriteStringEntry(kEntry, camera != nullptr ? CameraText(*camera).c_str() : "");
}
