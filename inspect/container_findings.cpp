#include "inspect/structure_findings.h"

namespace corvinex::inspect {

namespace {

using Arguments = std::vector<Argument>;

void findInSegments(const FileContent& file, FindingList& findings) {
    const JpegSegments& segments = *file.segments;
    switch (segments.end) {
        case JpegEnd::NoMarker:
            findings.add(Rule::JpegMarkerExpected, {},
                         [&] { return Arguments{segments.position}; });
            break;
        case JpegEnd::SegmentPastEnd:
            findings.add(Rule::JpegSegmentPastEnd, {}, [&] {
                return Arguments{std::uint64_t{segments.code}, segments.position,
                                 std::uint64_t{segments.length}};
            });
            break;
        case JpegEnd::EndOfImage:
            findings.add(Rule::JpegNoScan);
            break;
        case JpegEnd::EndOfFile:
            findings.add(Rule::JpegNoEnd);
            break;
        case JpegEnd::Scan:
            if (findJpegEndMarker(file.source, segments.scanData) == false) {
                findings.add(Rule::JpegNoEnd);
            }
    }
    for (std::size_t i = 0; i < segments.exif.size(); ++i) {
        if (i != file.exifSegment && file.exifSegment) {
            findings.add(Rule::ExifBlockRepeated, {},
                         [&] { return Arguments{segments.exif[i].marker}; });
        }
    }
}

}  // namespace

void findInContainer(const FileContent& file, FindingList& findings) {
    if (file.segments) {
        findInSegments(file, findings);
        if (file.header.position && (!file.header.isRight || file.blockEnd() < file.headerSize())) {
            findings.add(Rule::ExifBlockHeader);
        }
        return;
    }
    if (file.header.isCut) {
        findings.add(Rule::HeaderTruncated, {}, [&] { return Arguments{file.end()}; });
    } else if (file.isBig() &&
               (file.header.offsetSize != file.layout.offsetSize || file.header.reserved != 0)) {
        findings.add(Rule::BigTiffHeader, {}, [&] {
            return Arguments{std::uint64_t{file.header.offsetSize},
                             std::uint64_t{file.header.reserved}};
        });
    }
}

}  // namespace corvinex::inspect
