#include "ContactShade.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kCellSize = 1.0f;
constexpr float kReach = 3.0f;  // in radii; beyond it the shade is invisible

}  // namespace

ContactShade::ContactShade(const Scene& scene)
{
    std::vector<Ball> balls;
    ZmVector low(1e9f, 0, 1e9f), high(-1e9f, 0, -1e9f);
    for (const Model& model : scene.models) {
        if (model.made != Material::STATUE) {
            continue;
        }
        balls.push_back(BallAround(model));
        const ZmVector &centre = balls.back().centre, reach = Reach(balls.back());
        low = {std::min(low.x, centre.x - reach.x), 0, std::min(low.z, centre.z - reach.z)};
        high = {std::max(high.x, centre.x + reach.x), 0, std::max(high.z, centre.z + reach.z)};
    }
    if (balls.empty()) {
        return;
    }
    m_Corner = low;
    m_Columns = int((high.x - low.x) / kCellSize) + 1;
    m_Rows = int((high.z - low.z) / kCellSize) + 1;
    m_Cells.resize(size_t(m_Columns) * size_t(m_Rows));
    for (const Ball& ball : balls) {
        Insert(ball);
    }
}

ContactShade::Ball ContactShade::BallAround(const Model& model)
{
    const ZmVector size = model.box.Max - model.box.Min, centre = (model.box.Max + model.box.Min) * 0.5f;
    const float radius = (size.x + size.y + size.z) / 7.5f;
    return {{centre.x, model.box.Min.y + std::min(0.9f * radius, 0.5f * size.y), centre.z}, radius, &model};
}

ZmVector ContactShade::Reach(const Ball& ball)
{
    return {kReach * ball.radius, 0, kReach * ball.radius};
}

// Adds the ball to each cell that its shade can reach.
void ContactShade::Insert(const Ball& ball)
{
    const ZmVector from = (ball.centre - m_Corner - Reach(ball)) * (1 / kCellSize);
    const ZmVector to = (ball.centre - m_Corner + Reach(ball)) * (1 / kCellSize);
    for (int row = std::max(0, int(from.z)); row <= std::min(m_Rows - 1, int(to.z)); ++row) {
        for (int column = std::max(0, int(from.x)); column <= std::min(m_Columns - 1, int(to.x)); ++column) {
            m_Cells[size_t(row) * size_t(m_Columns) + size_t(column)].push_back(ball);
        }
    }
}

const std::vector<ContactShade::Ball>* ContactShade::Near(const ZmVector& point) const
{
    const float column = (point.x - m_Corner.x) / kCellSize, row = (point.z - m_Corner.z) / kCellSize;
    if (!(column >= 0 && row >= 0 && column < float(m_Columns) && row < float(m_Rows))) {
        return nullptr;
    }
    return &m_Cells[size_t(row) * size_t(m_Columns) + size_t(column)];
}

float ContactShade::OpenSky(const ZmVector& point, const ZmVector& normal, const Model* self) const
{
    const std::vector<Ball>* balls = Near(point);
    if (balls == nullptr) {
        return 1;
    }
    float open = 1;
    for (const Ball& ball : *balls) {
        if (ball.of == self) {
            continue;
        }
        // A sphere in direction d blocks (n . d) * radius^2 / distance^2 of the light.
        const ZmVector to = ball.centre - point;
        const float square = std::max(SquareLength(to), ball.radius * ball.radius);
        const float fade = 1 - square / (kReach * kReach * ball.radius * ball.radius);
        const float facing = std::max(0.0f, 0.25f + 0.75f * Dot(normal, to) / std::sqrt(square));
        if (fade > 0) {
            open *= 1 - 0.9f * fade * facing * ball.radius * ball.radius / square;
        }
    }
    return open;
}
