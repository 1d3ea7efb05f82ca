#include "Scene.h"

#include <algorithm>
#include <cmath>

void Scene::Add(const Mesh& shape, Material made, const ZmMatrix& world, const ZmVector& colour)
{
    Model model = {&shape, made, world, {}, colour};
    model.box.TransformFrom(shape.box, world);
    models.push_back(model);
}

std::vector<VisibleModel> ModelsInView(const Scene& scene, const ZmMatrix& worldToClip, int width, int height)
{
    const ZmRect screen(0, 0, float(width), float(height));
    std::vector<VisibleModel> visible;
    for (const Model& model : scene.models) {
        ZmRect extents;
        ZMCLIP_FLAGS andFlags, orFlags;
        if (!ZmTransformBox2D(worldToClip, model.box, &screen, &extents, andFlags, orFlags)) {
            continue;
        }
        const ZmVector middle = (model.box.Max + model.box.Min) * 0.5f;
        const float distance = Dot(middle - scene.camera.Origin, scene.camera.Direction);
        const int first = int(std::floor(std::clamp(extents.top, 0.0f, screen.bottom)));
        const int end = int(std::ceil(std::clamp(extents.bottom, 0.0f, screen.bottom)));
        visible.push_back({&model, distance, first, end});
    }
    std::sort(visible.begin(), visible.end(),
              [](const VisibleModel& a, const VisibleModel& b) { return a.distance < b.distance; });
    return visible;
}
