// A shared library without the strategy entry points.
extern "C" int NotAStrategy() { return 1; }
