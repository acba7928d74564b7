// This file is compiled into each module that has resources. It embeds the compiled resource file EQ_RESOURCE_FILE and
// registers it.

#include "platform/standin/ModuleResources.h"

asm(".pushsection .rodata\n"
    ".balign 16\n"
    ".local standin_resources_begin\n"
    "standin_resources_begin:\n"
    ".incbin \"" EQ_RESOURCE_FILE "\"\n"
    ".local standin_resources_end\n"
    "standin_resources_end:\n"
    ".byte 0\n"
    ".popsection\n");

extern "C" {
extern const std::byte standin_resources_begin[];
extern const std::byte standin_resources_end[];
}

static const eq::standin::ModuleResources EmbeddedResources(standin_resources_begin, standin_resources_end);
