/// A library in the place of the screen-grab library that offers nothing of it.
extern "C" __attribute__((visibility("default"))) void otherFunction() {}
