#pragma once

#include <lilv/lilv.h>

#include <memory>

namespace orvalo {

/// Frees what lilv gives to its caller. As lilv itself, only inside an LV2World::Access.
struct LilvDeleter {
    void operator()(LilvWorld* world) const { lilv_world_free(world); }
    void operator()(LilvNode* node) const { lilv_node_free(node); }
    void operator()(LilvNodes* nodes) const { lilv_nodes_free(nodes); }
    void operator()(LilvState* state) const { lilv_state_free(state); }
    void operator()(LilvInstance* instance) const { lilv_instance_free(instance); }
};

template <typename Type>
using LilvPointer = std::unique_ptr<Type, LilvDeleter>;

}  // namespace orvalo
