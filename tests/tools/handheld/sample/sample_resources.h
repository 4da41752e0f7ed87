// Identifiers of the sample's resources.
#pragma once
#define GREETING_TEXT 101
#define FAR_TEXT 4000
#define NUMBERS_DATA 5
#define PICTURE_DATA 6
