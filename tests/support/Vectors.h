#pragma once
#include "smVec3d.h"
#include "smVec3f.h"
#include "smVec4f.h"
#include <ostream>

/// Exact comparison and printing of vectors, which only tests need.
namespace tessarine
{
inline bool operator==(const smVec3d& a, const smVec3d& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

inline bool operator==(const smVec3f& a, const smVec3f& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

inline bool operator==(const smVec4f& a, const smVec4f& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z && a.w == b.w;
}

inline void PrintTo(const smVec3d& v, std::ostream* out)
{
    *out << '(' << v.x << ", " << v.y << ", " << v.z << ')';
}

inline void PrintTo(const smVec3f& v, std::ostream* out)
{
    PrintTo(smVec3d(v), out);
}

inline void PrintTo(const smVec4f& v, std::ostream* out)
{
    *out << '(' << v.x << ", " << v.y << ", " << v.z << ", " << v.w << ')';
}
}
