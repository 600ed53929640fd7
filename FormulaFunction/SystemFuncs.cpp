// Construction, copy and destruction of the function library object.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/DerivedCaches.h"
#include "FormulaFunction/platform/Platform.h"

// Every construction reseeds the process-wide generator with the clock, so creating
// a formula instance changes the sequence that every other instance draws from.
CSystemFuncs::CSystemFuncs(CKelBaseData* baseData)
    : m_pBaseData(baseData), m_pDerivedCaches(std::make_unique<DerivedCaches>()) {
    ffplatform::SeedRandom(static_cast<uint32_t>(ffplatform::CurrentTimeSeconds()));
}

// A copy shares the host data object and carries the cached values and the live
// bar's restore point, but starts without derived figures. It does not reseed the generator.
CSystemFuncs::CSystemFuncs(const CSystemFuncs& other)
    : PropertyCache(other.PropertyCache),
      m_restorePoint(other.m_restorePoint),
      m_pBaseData(other.m_pBaseData),
      m_pDerivedCaches(std::make_unique<DerivedCaches>()) {}

CSystemFuncs& CSystemFuncs::operator=(const CSystemFuncs& other) {
    if (this != &other) {
        PropertyCache = other.PropertyCache;
        m_restorePoint = other.m_restorePoint;
        m_pBaseData = other.m_pBaseData;
        m_pDerivedCaches = std::make_unique<DerivedCaches>();
    }
    return *this;
}

CSystemFuncs::~CSystemFuncs() = default;

CKelBaseData* CSystemFuncs::GetBaseData() { return m_pBaseData; }

// The machine's own clock, deliberately not a server's, as 32-bit seconds.
int32_t CSystemFuncs::GetServerTime() {
    return static_cast<int32_t>(static_cast<uint32_t>(ffplatform::CurrentTimeSeconds()));
}

DerivedCaches& CSystemFuncs::NewDerived() {
    m_pDerivedCaches = std::make_unique<DerivedCaches>();
    return *m_pDerivedCaches;
}
