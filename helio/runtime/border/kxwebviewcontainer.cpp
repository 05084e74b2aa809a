#include "host/kxwebviewcontainer.h"

KxWebViewJsApiRunner::~KxWebViewJsApiRunner() = default;

KxWebViewContainer::KxWebViewContainer(QObject *parent) : QObject(parent) {}

KxWebViewContainer::~KxWebViewContainer() = default;
