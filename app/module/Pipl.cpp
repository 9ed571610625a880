// The property list by which hosts find the filter without loading it, in a section of its own. The linker
// keeps it (R) although nothing refers to it, and it is no symbol.
__asm__(".pushsection .pipl, \"aR\", @progbits\n"
        ".incbin \"" VELLUM_PIPL "\"\n"
        ".popsection\n");
