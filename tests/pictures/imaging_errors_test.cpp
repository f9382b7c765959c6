// The imaging status table: every row, the gaps, and the reversed row that never matches.
#include "pictures/imaging_errors.h"
#include "pictures/imaging_formats.h"

#include <gtest/gtest.h>

using tw::GetImagingErrorText;

TEST(ImagingErrorText, EveryRowAsWritten)
{
    EXPECT_EQ(GetImagingErrorText(20000), "General failure");
    EXPECT_EQ(GetImagingErrorText(20001), "Not enough memory available");
    EXPECT_EQ(GetImagingErrorText(20003), "Not enough memory available");
    EXPECT_EQ(GetImagingErrorText(20007), "Error reading file");
    EXPECT_EQ(GetImagingErrorText(20012), "Image format recognized, but sub-type not supported");
    EXPECT_EQ(GetImagingErrorText(20013), "Invalid parmameter passed");
    EXPECT_EQ(GetImagingErrorText(20017), "VGA card only supports 256 colors (8 bit)");
    EXPECT_EQ(GetImagingErrorText(20029), "Escape key pressed");
    EXPECT_EQ(GetImagingErrorText(20063), "Fixed palette data not found");
    EXPECT_EQ(GetImagingErrorText(20064), "Fixed palette data not found");
    EXPECT_EQ(GetImagingErrorText(20065), "Stamp not found");
    EXPECT_EQ(GetImagingErrorText(20073), "Premature EOF at scanline");
    EXPECT_EQ(GetImagingErrorText(20077), "Premature end-of-line code");
    EXPECT_EQ(GetImagingErrorText(20084), "Twain DS or DSM reported error, app shouldn't");
    EXPECT_EQ(GetImagingErrorText(20089), "Twain unknown destination App/Src in DSM_Entry");
    EXPECT_EQ(GetImagingErrorText(20090), "Twain operation was cancelled");
}

TEST(ImagingErrorText, FullTableCount)
{
    int rows = 0;
    for (int c = 19990; c < 20100; ++c)
        if (!GetImagingErrorText(c).isEmpty()) ++rows;
    // 50 codes have a text: 20000..20019 but 20020, 20021..20029, 20063..65, 20070..73, 20077..90.
    EXPECT_EQ(rows, 20 + 9 + 3 + 4 + 14);
}

TEST(ImagingErrorText, GapsAreEmpty)
{
    EXPECT_EQ(GetImagingErrorText(20020), "");
    EXPECT_EQ(GetImagingErrorText(19999), "");
    EXPECT_EQ(GetImagingErrorText(20091), "");
    EXPECT_EQ(GetImagingErrorText(0), "");
    EXPECT_EQ(GetImagingErrorText(-20000), "");
    for (int c : {20066, 20067, 20068, 20069, 20074, 20075, 20076})
        EXPECT_EQ(GetImagingErrorText(c), "") << c;
}

TEST(ImagingErrorText, ReversedRowNeverMatches)
{
    for (int c = 20030; c <= 20062; ++c) EXPECT_EQ(GetImagingErrorText(c), "") << c;
}

TEST(ImagingErrorText, MessageForm)
{
    EXPECT_EQ(tw::imagingErrorMessage(20010), "Error '20010, File not found' was generated.");
    EXPECT_EQ(tw::imagingErrorMessage(20020), "Error '20020, ' was generated.");
}

TEST(ImageFormatName, TableRows)
{
    EXPECT_EQ(tw::GetImageFormatName(10), "JPEG File Interchange Format");
    EXPECT_EQ(tw::GetImageFormatName(86), "Tagged Image File LZW Compressed Forma");
    EXPECT_EQ(tw::GetImageFormatName(142), "Silicon Graphics Image");
    EXPECT_EQ(tw::GetImageFormatName(7), "Unknown format");
    EXPECT_EQ(tw::formatNumberOfCoder("ICO", "CUR"), 92);
    EXPECT_EQ(tw::formatNumberOfCoder("FLIC", "FLI"), 61);
    EXPECT_EQ(tw::formatNumberOfCoder("FLIC", "FLC"), 134);
}
