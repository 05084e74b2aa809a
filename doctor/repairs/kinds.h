#pragma once

#include "doctor/repairs/step.h"

namespace doctor {

// Each is defined beside its function.
extern const StepKind setStep;
extern const StepKind unsetStep;
extern const StepKind defaultApplicationStep;
extern const StepKind addLineStep;
extern const StepKind replaceLineStep;
extern const StepKind removeLineStep;
extern const StepKind dropLineStep;
extern const StepKind asideStep;
extern const StepKind restoreStep;
extern const StepKind copyStep;
extern const StepKind writeStep;
extern const StepKind removeStep;
extern const StepKind unlockStep;
extern const StepKind linkStep;
extern const StepKind directoryStep;
extern const StepKind rightsStep;
extern const StepKind endStep;
extern const StepKind showStep;
extern const StepKind installStep;
extern const StepKind notRunningStep;
extern const StepKind restorePackedStep;
extern const StepKind keepWholeItemsStep;

} // namespace doctor
