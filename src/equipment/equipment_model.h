#pragma once

#include <string>
#include <vector>

#include "text/ext_collection.h"

namespace gantry {

class LinkSettings;
class StaticWellDataCollection;

// What the model tells the host of itself: the tree that docs/equipment-xml.md shows as a file.
// Texts are in the host's code page. The writer covers all of it, this driver fills a part.

/// The text path under which a value is reached.
struct CXmlVariableQuillonTag : CExtCollectionObject {
  std::string Tag;
  std::string Qualifier;
};

struct CXmlEquipmentVariable : CExtCollectionObject {
  std::string Label;
  std::string Unit;
  bool Writeable = false;
  CExtCollection<CXmlVariableQuillonTag> Tags;
};

struct CXmlEquipmentItem : CExtCollectionObject {
  std::string Label;
  std::string Type;
  std::string SubType;
  CExtCollection<CXmlEquipmentItem> Children;  ///< of these only label and type are written
  CExtCollection<CXmlEquipmentItem> Parents;   ///< of these too
  CExtCollection<CXmlEquipmentVariable> Variables;
};

struct CXmlModuleData : CExtCollectionObject {
  std::string Application;
  std::string Alias;  ///< the host's label of the model
  bool IsLocal = false;
  std::string Description;
  std::string Share;
  std::string UniqueId;
  std::string System;
  std::string SystemType;  ///< written only when it isn't blank
  CExtCollection<CXmlEquipmentItem> Equipment;
};

struct CXmlModule : CExtCollectionObject {
  std::string Filename;
  CExtCollection<CXmlModuleData> Data;
};

/// The root.
struct EquipmentModel {
  std::string Filename;
  CExtCollection<CXmlModule> Modules;
};

/// Describes one case with its wells: those of `names`, or every one when that is empty.
void FillEquipment(EquipmentModel& equipment, const LinkSettings& settings,
                   const std::string& label, const StaticWellDataCollection& wells,
                   bool withoutVariables, const std::vector<std::string>& names);

}  // namespace gantry
