// First on the include path of the portable rings, in the place of the system's header.
#error "The middle ring is portable: it reaches Windows through platform/ only and never includes <windows.h>"
