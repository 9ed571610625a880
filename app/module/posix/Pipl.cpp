// The property list by which hosts find the filter without loading it, in a separate section. The linker
// keeps it (R) although nothing refers to it, and it has no symbol.
__asm__(".pushsection .pipl, \"aR\", @progbits\n"
        ".incbin \"" VELLUM_PIPL "\"\n"
        ".popsection\n");
