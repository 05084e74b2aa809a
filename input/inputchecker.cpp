#include "input/inputchecker.h"

InputChecker::InputChecker(QObject *parent) : QObject(parent) {}

InputChecker::~InputChecker() = default;
