#pragma once

/// A number whose instances are counted and know their own address. Detects objects moved by copying their bytes,
/// leaked objects, and objects destroyed twice.
class Tracked {
public:
    Tracked(int number = 0) : m_Number(number), m_Self(this) { ++s_Alive; }
    Tracked(const Tracked& src) : Tracked(src.Number()) {}
    Tracked(Tracked&& src) noexcept : Tracked(src.Number()) { src.m_Number = kMovedFrom; }
    Tracked& operator=(const Tracked& src)
    {
        m_Number = src.Number();
        return *this;
    }
    ~Tracked() { --s_Alive; }

    int Number() const { return m_Self == this ? m_Number : kMovedByBytes; }

    static int Alive() { return s_Alive; }

private:
    static constexpr int kMovedFrom = -1, kMovedByBytes = -2;

    int m_Number;
    const Tracked* m_Self;
    inline static int s_Alive = 0;
};
