#include "inspect/rules/rules.h"

#include <string>
#include <utility>

#include "inspect/rules/directory_rules.h"
#include "inspect/rules/pointer_rules.h"
#include "inspect/rules/structure_places.h"

namespace corvinex::inspect {

namespace {

/// Goes through the directories of a file in the order of the walk.
class DirectoryCheck {
  public:
    DirectoryCheck(const FileContent& file, FindingList& findings)
        : context_(file, findings), pointers_(context_), structure_(findStructurePlaces(file)) {}

    void run() {
        pointers_.checkHeader();
        for (std::uint32_t index = 0; index < context_.file.directories.size(); ++index) {
            begin(index);
            checkPlace();
            checkEntries(context_);
            if (!context_.directory->record().isGarbled) {
                pointers_.checkDirectory();
                checkFields();
            }
        }
        context_.ranges.findOverlaps(structure_.covered, context_.findings, context_.file);
    }

  private:
    void begin(std::uint32_t index) {
        const Directory& directory = context_.file.directories[index];
        context_.findings.beginDirectory(index);
        context_.index = index;
        context_.directory = &directory;
        context_.entries = directory.entries();
        context_.isTruncated = isTruncated(context_.file, directory.record());
        context_.isBlank = true;
        context_.tags.begin(directory.kind());
        if (context_.entries.size() > mostEntries) {
            context_.entries = context_.entries.first(mostEntries);
            context_.reportLimit(Limit::Entries, {});
        }
    }

    void checkPlace() {
        if (context_.isTruncated) {
            const DirectoryRecord& record = context_.directory->record();
            context_.findings.add(Rule::DirectoryTruncated, {}, record.toldCount,
                                  countWholeEntries(context_.file, record));
        }
        while (overlap_ < structure_.overlaps.size() &&
               structure_.overlaps[overlap_].directory == context_.index) {
            const DirectoryPlace& place = structure_.overlaps[overlap_++];
            context_.findings.add(Rule::DirectoryOverlap, {}, place.start, place.end);
        }
    }

    void checkFields() {
        switch (context_.kind()) {
            case DirectoryKind::Main:
            case DirectoryKind::Sub:
                checkImage(context_);
                checkImageFields(context_);
                break;
            case DirectoryKind::Exif:
                checkExifFields(context_);
                break;
            case DirectoryKind::Gps:
                checkGpsFields(context_);
                break;
            case DirectoryKind::Interop:
                break;
        }
    }

    RuleContext context_;
    PointerRules pointers_;
    StructurePlaces structure_;
    std::size_t overlap_ = 0;
};

}  // namespace

void RuleContext::reportLimit(Limit limit, std::optional<std::uint16_t> tag) {
    static constexpr std::array<std::string_view, 5> names{"depth", "entries", "total", "values",
                                                           "ranges"};
    findings.add(Rule::LimitReached, FindingPlace(tag, static_cast<std::uint32_t>(limit)),
                 names.at(static_cast<std::size_t>(limit)));
}

std::vector<Finding> findProblems(const FileContent& file) {
    if (!file.container) {
        return {};
    }
    FindingList findings(file);
    checkContainer(file, findings);
    if (file.header.byteOrder && !file.header.isCut) {
        DirectoryCheck(file, findings).run();
    }
    return std::move(findings).finish();
}

}  // namespace corvinex::inspect
