// Requests without an effect here share this.
#pragma once

#include <wayland-server.h>

/// A request that the compositor takes and ignores.
template <class... Arguments>
void Ignore(wl_client*, wl_resource*, Arguments...) {}

inline void DestroyResource(wl_client*, wl_resource* pResource) { wl_resource_destroy(pResource); }

/// Makes an object that the client named `uId`.
inline wl_resource* MakeResource(wl_client* pClient, const wl_interface& type, int nVersion, uint32_t uId,
                                 const void* pRequests, void* pData,
                                 wl_resource_destroy_func_t fnDestroyed = nullptr) {
    wl_resource* pResource = wl_resource_create(pClient, &type, nVersion, uId);
    wl_resource_set_implementation(pResource, pRequests, pData, fnDestroyed);
    return pResource;
}
