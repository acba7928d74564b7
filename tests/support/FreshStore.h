#pragma once

#include "wedge/CLanguageStore.h"

struct CLanguageStoreTestAccess {
    static void drop() noexcept { CLanguageStore::dropInstance(); }
};

/// The process's store is as ahead of its first use, at the start and at the end of this object's life.
class FreshStore {
public:
    FreshStore() { CLanguageStoreTestAccess::drop(); }
    ~FreshStore() { CLanguageStoreTestAccess::drop(); }
    FreshStore(const FreshStore&) = delete;
    FreshStore& operator=(const FreshStore&) = delete;
};
