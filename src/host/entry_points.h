#pragma once

#include <cstdint>

#include "boundary/records.h"

/// The functions that the module exports to its host; docs/boundary.md tells each with an example.
/// They hold no logic beyond their checks, and catch nothing: the host guards its calls. A model
/// handle is what `ExtCreateInstance` gave.
extern "C" {

int32_t ExtIdentify(void* identityRecord, gantry::ExtErrorBlock* err);
int32_t ExtCreateInstance(void** outModel, gantry::ExtErrorBlock* err);
int32_t ExtDestroyInstance(void* model, gantry::ExtErrorBlock* err);
int32_t ExtCmd(void* model, void* window, uint32_t command, void* data, uint32_t value,
               gantry::ExtErrorBlock* err);
int32_t ExtConfigure(void* parentWindow);
void ExtCopyConfigure(void* rootKey, const char* baseKeyPath);
void ExtHelp(void);
int32_t ExtConnectToApp(void* model, uint32_t first, uint32_t second, gantry::ExtErrorBlock* err);
int32_t ExtStartApp(void* model, uint32_t value, gantry::ExtErrorBlock* err);
int32_t ExtStopApp(void* model);
/// `names` ends with a null pointer; null or empty means every well.
int32_t ExtEquipXml(void* model, const char* path, uint32_t flag, const char* const* names);
int32_t ExtCreateUnit(int32_t index, void* unitRecord);

/// Where the host stores its callback at load; the module only offers the place.
using BrindleShowDataServerString = void (*)(void* window, const void* data, int flag,
                                             unsigned long value);
extern BrindleShowDataServerString GlpfnBrindleShowDataServerString;

}  // extern "C"
