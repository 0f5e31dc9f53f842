#pragma once

#include <string>

namespace vesk::test {

/// What the service answers to a redemption, with credentials that are easy to find again.
inline const std::string redeemAnswer =
    R"({"ok":true,"account_email":"dana@example.com","user_id":"user-1","device_id":"device-1",)"
    R"("auth_token":"planted-auth-token","auth_token_expires_at":1800000000,)"
    R"("openrouter_api_key":"planted-router-key","openrouter_key_hash":"planted-key-hash",)"
    R"("runtime_key":{"id":"key-1","label":"Laptop","weekly_limit_usd":12.5,"limit_reset":"weekly",)"
    R"("guardrail_id":"guard-1"}})";

} // namespace vesk::test
