#include "host/kheliopluginwidget.h"

KHelioPluginWidget::KHelioPluginWidget(QWidget *parent) : QWidget(parent) {}

KHelioPluginWidget::~KHelioPluginWidget() = default;

void KHelioPluginWidget::retranslate() {}
