// Memory in a game loop: particles come from pools, lists that live for one frame from scratch blocks. After the first
// frames nothing is allocated any more.
#include <ZmMath.h>

#include <cstdio>
#include <new>

namespace {

struct Particle {
    ZmVector position, velocity;
    int framesLeft;
};

void Emit(XArray<Particle*>& particles, int count)
{
    for (int i = 0; i < count; ++i) {
        void* block = ZmAllocator::Instance().AllocatePool(sizeof(Particle));
        const ZmVector velocity(float(i % 5 - 2) * 0.1f, 1, float(i % 3 - 1) * 0.1f);
        particles.PushBack(new (block) Particle{ZmVector::axis0(), velocity, 8 + i % 4});
    }
}

void Move(XArray<Particle*>& particles)
{
    for (int i = particles.Size() - 1; i >= 0; --i) {
        Particle& particle = *particles[i];
        particle.velocity.y -= 0.125f;
        particle.position += particle.velocity;
        if (--particle.framesLeft == 0) {
            ZmAllocator::Instance().ReleasePool(sizeof(Particle), &particle);
            particles[i] = particles.Back();
            particles.PopBack();
        }
    }
}

/// The points to draw, in a scratch block for this frame.
ZmVector* Gather(const XArray<Particle*>& particles)
{
    const unsigned int size = unsigned(particles.Size()) * unsigned(sizeof(ZmVector));
    auto* points = static_cast<ZmVector*>(ZmAllocator::Instance().AllocateScratch(size));
    for (int i = 0; i < particles.Size(); ++i) {
        points[i] = particles[i]->position;
    }
    return points;
}

}  // namespace

int main()
{
    ZmAllocator& memory = ZmAllocator::Instance();
    XArray<Particle*> fountain;
    std::puts("frame  particles  highest  scratch blocks  bytes");
    for (int frame = 1; frame <= 40; ++frame) {
        Emit(fountain, 60);
        Move(fountain);
        ZmVector* points = Gather(fountain);
        float highest = 0;
        for (int i = 0; i < fountain.Size(); ++i) {
            highest = points[i].y > highest ? points[i].y : highest;
        }
        XString* caption = memory.AllocateScratchString();  // reuses the previous frame's string and its storage
        caption->Format("%5d  %9d  %7.3f", frame, fountain.Size(), highest);
        if (frame <= 2 || frame % 10 == 0) {
            std::printf("%s  %14d  %5u\n", caption->Text(), memory.GetAllocatedScratchCount(),
                        memory.GetAllocatedScratchMemory());
        }
        memory.ReleaseScratchString(caption);
        memory.ReleaseScratch(points);
    }
    for (Particle** particle = fountain.Begin(); particle != fountain.End(); ++particle) {
        memory.ReleasePool(sizeof(Particle), *particle);
    }
    memory.ReleaseUnusedScratch();
    std::printf("between levels: %u bytes of scratch\n", memory.GetAllocatedScratchMemory());
}
