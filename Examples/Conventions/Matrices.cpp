#include "Pictures.h"
#include "View.h"

#include <cmath>
#include <cstdio>

namespace {

std::string Number(float value)
{
    char text[16];
    std::snprintf(text, sizeof(text), "%.1f", std::fabs(value) < 0.05f ? 0.0 : double(value));
    return text;
}

/// The letter F, whose rotated and mirrored images look different.
const std::vector<ZmVector> kLetter = {{0, 0, 0},    {0.3f, 0, 0},    {0.3f, 0.7f, 0}, {0.8f, 0.7f, 0}, {0.8f, 1, 0},
                                       {0.3f, 1, 0}, {0.3f, 1.3f, 0}, {1, 1.3f, 0},    {1, 1.6f, 0},    {0, 1.6f, 0}};

std::vector<ZmVector> LetterThrough(const ZmMatrix& matrix)
{
    std::vector<ZmVector> corners = kLetter;
    for (ZmVector& corner : corners) {
        corner.x += 0.5f;
        corner = Transformed(matrix, corner);
    }
    return corners;
}

/// Draws the letter as the product transforms it and, in outline, as its two factors do, one after the other.
void DrawProduct(Canvas& canvas, float left, const ZmMatrix& a, const ZmMatrix& b, const char* names)
{
    const View view(kAhead, {left + 140, 300}, 52);
    canvas.Line(view({-1.8f, 0, 0}), view({4.6f, 0, 0}), kPale);
    canvas.Line(view({0, -0.5f, 0}), view({0, 4.8f, 0}), kPale);
    canvas.Fill(view(LetterThrough(ZmMatrix::Identity())), kPale);
    std::vector<ZmVector> corners = LetterThrough(b);
    canvas.Fill(view(corners), kOrange);

    ZmMatrix product;
    Zm3DMultiplyMatrix(product, a, b);
    canvas.Fill(view(LetterThrough(product)), kBlue);
    for (ZmVector& corner : corners) {
        corner = Transformed(a, corner);
    }
    corners.push_back(corners[0]);
    canvas.Path(view(corners), kInk, 2.5f);
    canvas.Text({left + 210, 360}, std::string("(res, ") + names + ")", kInk, 18, Align::CENTRE);
}

}  // namespace

bool DrawRows()
{
    Canvas canvas(800, 300);
    ZmMatrix m = EulerAngles(2, 25 * kDegrees);
    m[3][0] = 1.6f;
    m[3][1] = 1.2f;
    m[3][2] = 0.5f;

    const View view(kAslant, {60, 210}, 84);
    DrawAxes(canvas, view, ZmMatrix::Identity(), 1, 3, kGrey);
    DrawAxes(canvas, view, m, 1);
    canvas.Arrow(view({{0, 0, 0}, {m[3][0], m[3][1], m[3][2]}}), kInk);

    constexpr uint32_t colours[] = {kRed, kGreen, kBlue, kInk};
    constexpr const char* names[] = {"image of X", "image of Y", "image of Z", "translation"};
    for (int row = 0; row < 4; ++row) {
        const float y = 70 + 44 * float(row);
        for (int column = 0; column < 4; ++column) {
            canvas.Text({444 + 57 * float(column), y}, Number(m[row][column]), column < 3 ? colours[row] : kGrey, 18,
                        Align::RIGHT);
        }
        canvas.Text({644, y}, names[row], colours[row], 15);
    }
    canvas.Path({{392, 36}, {382, 36}, {382, 218}, {392, 218}}, kInk);
    canvas.Path({{620, 36}, {630, 36}, {630, 218}, {620, 218}}, kInk);
    canvas.Text({506, 265}, "v' = v * M", kInk, 18, Align::CENTRE);
    return canvas.Save("rows.png");
}

bool DrawProducts()
{
    Canvas canvas(800, 380);
    const ZmMatrix turn = EulerAngles(2, 50 * kDegrees);
    ZmMatrix move = ZmMatrix::Identity();
    move[3][0] = 2.8f;
    move[3][1] = 0.6f;
    DrawProduct(canvas, 0, move, turn, "move, turn");
    DrawProduct(canvas, 400, turn, move, "turn, move");
    canvas.Text({380, 34}, "Zm3DMultiplyMatrix", kInk, 18, Align::CENTRE);
    return canvas.Save("products.png");
}
