#include "VeskPlatform/Linux/Vcard/CardEditing.hpp"
#include "VeskPlatform/Linux/Vcard/CardReading.hpp"
#include "VeskPlatform/Linux/Vcard/CardScanner.hpp"

#include <benchmark/benchmark.h>

namespace vesk::vcard {
namespace {

/// A contact as address-book programs write it, with a photo of so many bytes in folded lines.
std::string cardText(std::size_t photoBytes) {
    std::string photo;
    for (std::size_t written = 0; written < photoBytes; written += 74) photo += "\r\n " + std::string(74, 'A');
    if (!photo.empty()) photo = "PHOTO;ENCODING=b;TYPE=JPEG:" + photo + "\r\n";
    return "BEGIN:VCARD\r\nVERSION:3.0\r\nPRODID:-//Example//EN\r\nN:Schmidt;Anna;Maria;;\r\nFN:Anna Maria Schmidt\r\n"
           "ORG:Beispiel GmbH;Einkauf\r\nTITLE:Leiterin\r\nTEL;TYPE=CELL:+49 176 1234567\r\nTEL;TYPE=WORK:030 1234\r\n"
           "EMAIL;TYPE=WORK:anna@example.org\r\nitem1.ADR;TYPE=HOME:;;Weg 1;Ulm;;89073;Germany\r\nitem1.X-ABADR:de\r\n"
           + photo + "UID:0b6f1f5c-41c5-4b1a-9df0\r\nREV:20260101T080000Z\r\nEND:VCARD\r\n";
}

void scanCard(benchmark::State& state) {
    const std::string text = cardText(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(scanCards(text));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(scanCard)->Arg(0)->Arg(1 << 20);

void readWholeCard(benchmark::State& state) {
    const std::string text = cardText(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(readCard(text));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(readWholeCard)->Arg(0)->Arg(1 << 20);

void appendPhone(benchmark::State& state) {
    const std::string text = cardText(0);
    const ContactCard base = readCard(text).value_or(ReadCard{}).contact;
    ContactCard wanted = base;
    wanted.phoneNumbers.push_back({contactLabel::home, "1"});
    for (auto _ : state) benchmark::DoNotOptimize(editedCardText(text, base, wanted, Instant{}));
}
BENCHMARK(appendPhone);

} // namespace
} // namespace vesk::vcard
