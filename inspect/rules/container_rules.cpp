#include "inspect/rules/directory_rules.h"

namespace corvinex::inspect {

namespace {

void checkSegments(const FileContent& file, FindingList& findings) {
    const JpegSegments& segments = *file.segments;
    switch (segments.end) {
        case JpegEnd::NoMarker:
            findings.add(Rule::JpegMarkerExpected, {}, segments.position);
            break;
        case JpegEnd::SegmentPastEnd:
            findings.add(Rule::JpegSegmentPastEnd, {}, segments.code, segments.position,
                         segments.length);
            break;
        case JpegEnd::EndOfImage:
            findings.add(Rule::JpegNoScan, {});
            break;
        case JpegEnd::EndOfFile:
            findings.add(Rule::JpegNoEnd, {});
            break;
        case JpegEnd::Scan:
            if (findJpegEndMarker(file.source, segments.scanData) == false) {
                findings.add(Rule::JpegNoEnd, {});
            }
    }
    for (std::size_t i = 0; i < segments.exif.size(); ++i) {
        if (i != file.exifSegment && file.exifSegment) {
            findings.add(Rule::ExifBlockRepeated, {}, segments.exif[i].marker);
        }
    }
}

}  // namespace

void checkContainer(const FileContent& file, FindingList& findings) {
    if (file.segments) {
        checkSegments(file, findings);
        if (file.header.position && (!file.header.isRight || file.blockEnd() < file.headerSize())) {
            findings.add(Rule::ExifBlockHeader, {});
        }
        return;
    }
    if (file.header.isCut) {
        findings.add(Rule::HeaderTruncated, {}, file.end());
    } else if (file.isBig() &&
               (file.header.offsetSize != file.layout.offsetSize || file.header.reserved != 0)) {
        findings.add(Rule::BigTiffHeader, {}, file.header.offsetSize, file.header.reserved);
    }
}

}  // namespace corvinex::inspect
