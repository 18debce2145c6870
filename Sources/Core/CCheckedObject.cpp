#include "Core/CCheckedObject.h"

#include "Core/CAddressSet.h"

namespace tarv {

namespace {

struct CLiveBucket {
    CLock lock;
    CAddressSet objects;
};

constexpr size_t kBucketCount = 64;

struct CLiveTable {
    CLiveBucket buckets[kBucketCount];
};

// Never destroyed: objects with static lifetime leave the table after main has ended.
CLiveBucket& bucketOf(const CCheckedObject* object) {
    alignas(CLiveTable) static unsigned char storage[sizeof(CLiveTable)];
    static CLiveTable* table = new (storage) CLiveTable;
    const auto p = reinterpret_cast<uintptr_t>(object);
    return table->buckets[((p >> 4) ^ (p >> 12) ^ (p >> 20) ^ (p >> 28)) & (kBucketCount - 1)];
}

}  // namespace

CCheckedObject::CCheckedObject() {
    CLiveBucket& bucket = bucketOf(this);
    CLockScope scope(bucket.lock);
    bucket.objects.insert(this);
}

CCheckedObject::~CCheckedObject() {
    CLiveBucket& bucket = bucketOf(this);
    CLockScope scope(bucket.lock);
    bucket.objects.erase(this);
}

bool CCheckedObject::isLive(const CCheckedObject* object) {
    CLiveBucket& bucket = bucketOf(object);
    CLockScope scope(bucket.lock);
    return bucket.objects.contains(object);
}

}  // namespace tarv
