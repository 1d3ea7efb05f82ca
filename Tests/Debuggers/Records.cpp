// One object of each kind that the debugger scripts display, inspected by Gdb.py.
#include <ZmMath.h>

// Must not be inlined, so that the breakpoint on it is hit.
__attribute__((noinline)) void Look()
{
    asm volatile("");
}

int main()
{
    XString text("a\tlittle \"text\"");
    XString empty;
    XArray<ZmVector> array;
    array.PushBack({1, 2, 3});
    array.PushBack({-1, 0.5f, 0});
    XArray<int> nothing;
    XHashTable<int, XString> table;
    table.Insert("one", 1);
    table.Insert("two", 2);
    XHashItem<int, XString>& item = table.ItemAt(1);
    XGUID guid{0x12, 0xABCDEF};
    ZmVector vector(1, 2, 3);
    const ZmVector& reference = vector;
    ZmVector4 vector4(1, 2, 3, 4);
    Zm2DVector vector2(1, 2);
    ZmQuaternion quaternion;
    ZmColor colour(1, 0.5f, 0.25f);
    ZmMatrix matrix({1, 0, 0}, {0, 2, 0}, {0, 0, 3}, {4, 5, 6});
    ZmBbox box{{1, 2, 3}, {-1, -2, -3}};
    ZmOBB obb{{1, 2, 3}, {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}, {4, 5, 6}};
    ZmPlane plane{{0, 1, 0}, -2};
    ZmRay ray{{1, 2, 3}, {0, 0, 1}};
    ZmSphere sphere{{1, 2, 3}, 4};
    ZmRect rect(1, 2, 3, 4);
    Look();
    return text.Length() + empty.Length() + nothing.Size() + item.value + int(guid.first) +
                       int(reference.x + vector4.w) +
                       int(vector2.x + quaternion.w + colour.r + matrix[0][0] + box.Max.x + obb.Extent[0]) +
                       int(plane.D + ray.Origin.x + sphere.Radius + rect.left) <
                   0
               ? 1
               : 0;
}
