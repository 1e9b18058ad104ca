#pragma once

#include <span>

#include "inspect/rules/code_lists.h"
#include "inspect/rules/finding_list.h"
#include "inspect/rules/rule_context.h"

// The rules that are asked of the file as a whole and of each directory, one function a topic. They
// add what they find.

namespace corvinex::inspect {

/// The container and the header.
void checkContainer(const FileContent& file, FindingList& findings);

/// The entries by themselves, their order, and their types and counts. Notes the tags and the
/// values' ranges for the rules that come after.
void checkEntries(RuleContext& context);

/// The type, count and denominators that a standard gives to the tag of a sound entry.
void checkListedTag(RuleContext& context, const ListedTag& tag, SoundEntry entry);

/// Of an image directory: whether there are image data and what lays them out, where the data
/// lie, and what tells of samples and colours.
void checkImage(RuleContext& context);

/// Of an image directory: resolution, orientation, date, GeoTIFF keys and colour profile.
void checkImageFields(RuleContext& context);
void checkExifFields(RuleContext& context);
void checkGpsFields(RuleContext& context);

/// The form and the sense of a date in ASCII, of the date alone or with the time of day.
enum class DateForm : bool { DateAndTime, Date };
void checkDate(RuleContext& context, KnownTag tag, DateForm form);

/// The keys of a GeoTIFF directory.
void checkGeoKeys(RuleContext& context);

/// A tag and the codes that have a meaning.
struct CodeTag {
    KnownTag tag;
    std::span<const CodeRange> codes;
};
/// Reports single codes without a meaning.
void checkListedValues(RuleContext& context, std::span<const CodeTag> rows);

}  // namespace corvinex::inspect
