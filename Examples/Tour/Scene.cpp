#include "Scene.h"

#include <algorithm>
#include <cmath>

void Scene::Add(const Mesh& shape, Material made, const ZmMatrix& world, const ZmVector& colour)
{
    Model model = {&shape, made, world, {}, colour};
    model.box.TransformFrom(shape.box, world);
    models.push_back(model);
}

ZmStridedData Boxes(const Scene& scene)
{
    return {const_cast<ZmBbox*>(&scene.models.front().box), sizeof(Model)};
}

std::vector<VisibleModel> ModelsInView(const Scene& scene, const ZmMatrix& worldToClip, int width, int height)
{
    std::vector<uint32_t> inView(scene.models.size());
    inView.resize(size_t(ZmCullBoxes(scene.camera, Boxes(scene), int(scene.models.size()), nullptr, inView.data())));

    const ZmRect screen(0, 0, float(width), float(height));
    std::vector<VisibleModel> visible;
    for (const uint32_t number : inView) {
        const Model& model = scene.models[number];
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
