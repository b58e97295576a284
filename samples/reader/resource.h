#pragma once

// Controls of the window
#define IDC_FILTER 101
#define IDC_VOICES 102
#define IDC_TEXT 103
#define IDC_SPEED 104
#define IDC_PITCH 105
#define IDC_VOLUME 106
#define IDC_SPEAK 107
#define IDC_PAUSE 108
#define IDC_STOP 109
#define IDC_EXPORT 110
#define IDC_STATUS 111
#define IDC_PROGRESS 112

// Commands that have a key but no button
#define IDC_SELECT_ALL 120

#define IDR_KEYS 201
