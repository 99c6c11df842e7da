// Owner of the precompiled header that all rooms share (PrecompiledHeader.h).
