#include "VeskPlatform/Linux/Vcard/MailingText.hpp"

#include "VeskPlatform/Linux/Vcard/PhysicalLines.hpp"
#include "VeskSupport/Text.hpp"

#include <optional>
#include <unicode/uloc.h>
#include <vector>

namespace vesk::vcard {
namespace {

enum class CityLine { postalCityState, cityStatePostal, cityPostalState };

/// Countries that do not write the postal code first.
constexpr std::string_view cityStatePostalCountries = "US CA AU GB UK IE NZ GG IM JE GI FK GS IO PN SH TC PR GU VI AS "
                                                      "MP UM FM MH PW CX NF CC MT HU LV UA RU KZ UZ BR CO CN "
                                                      "JP KR TW HK SG ID TH PH VN KH LK NP BD BT MM MV BN BH JO LB SA "
                                                      "AE OM QA IQ IR EG NG ZA KE LS SZ JM BS BB BM KY TT PA";
constexpr std::string_view cityPostalStateCountries = "IN PK PE";

bool isListed(std::string_view countries, std::string_view code) {
    for (std::size_t at = 0; at < countries.size(); at += 3)
        if (countries.substr(at, 2) == code) return true;
    return false;
}

bool isCountry(std::string_view code) {
    for (const char* const* each = uloc_getISOCountries(); *each; ++each)
        if (*each == code) return true;
    return false;
}

/// None for a country that is not known.
std::optional<CityLine> cityLineOf(std::string_view country) {
    const std::string code = upperCased(trimmed(country));
    if (isListed(cityStatePostalCountries, code)) return CityLine::cityStatePostal;
    if (isListed(cityPostalStateCountries, code)) return CityLine::cityPostalState;
    return isCountry(code) ? std::optional(CityLine::postalCityState) : std::nullopt;
}

std::string joinedParts(const std::vector<std::string>& parts, std::string_view separator) {
    std::vector<std::string> present;
    for (const std::string& part : parts)
        if (!isBlank(part)) present.emplace_back(trimmed(part));
    return joined(present, separator);
}

std::string cityLine(const PostalAddress& address, CityLine order) {
    switch (order) {
    case CityLine::cityStatePostal: return joinedParts({address.city, address.state, address.postalCode}, " ");
    case CityLine::cityPostalState: return joinedParts({address.city, address.postalCode, address.state}, " ");
    case CityLine::postalCityState: break;
    }
    return joinedParts({address.postalCode, address.city, address.state}, " ");
}

} // namespace

std::string mailingText(const PostalAddress& address, const std::string& currentCountry) {
    std::optional<CityLine> order = cityLineOf(address.isoCountryCode);
    if (!order) order = cityLineOf(currentCountry);
    return joinedParts({address.street, cityLine(address, order.value_or(CityLine::postalCityState)), address.country},
                       "\n");
}

} // namespace vesk::vcard
