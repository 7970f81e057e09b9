#ifndef MORVANE_MAYA_MTYPES_H_
#define MORVANE_MAYA_MTYPES_H_

// Plain types that API signatures use.
using MInt64 = long long;
using MUint64 = unsigned long long;
using float2 = float[2];
using float3 = float[3];
using float4 = float[4];
using double2 = double[2];
using double3 = double[3];
using double4 = double[4];

#define MAYA_API_VERSION 300

#endif  // MORVANE_MAYA_MTYPES_H_
