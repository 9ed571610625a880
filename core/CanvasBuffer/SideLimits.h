// The message for sizes that no canvas can have.
#pragma once

constexpr wchar_t SIDE_LIMITS[] = L"ピクセルサイズは 1～12000 に限定されています。";
