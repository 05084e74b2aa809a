#pragma once

namespace texts {

/// Uses UTF-8 where the environment sets no locale, so that file names beyond ASCII are not
/// damaged. Call it first in main().
void assumeUtf8WithoutLocale();

} // namespace texts
