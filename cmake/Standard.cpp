// The precompiled header hangs on this file.
