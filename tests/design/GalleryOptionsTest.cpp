#include "gallery/GalleryOptions.h"

#include "gallery/Gallery.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;

TEST(GalleryOptions, OpenTheFirstPageInTheDarkWhenNothingIsAsked)
{
    EXPECT_EQ(GalleryOptions::parse({}), GalleryOptions());
}

TEST(GalleryOptions, SayPageThemeScaleSizeAndMotion)
{
    const auto options = GalleryOptions::parse(
        {u"--page"_s, u"LKButton"_s, u"--theme"_s, u"light"_s, u"--scale=1.25"_s, u"--size=800x600"_s, u"--still"_s});
    const GalleryOptions expected{.page = u"LKButton"_s,
                                  .theme = LK::Theme::Light,
                                  .scale = 1.25,
                                  .boring = true,
                                  .still = true,
                                  .size = {800, 600}};
    EXPECT_EQ(options, expected);
}

TEST(GalleryOptions, AnswerBadInputWithWhatIsWrong)
{
    for (const QStringList &bad : {QStringList{u"--page"_s, u"Nowhere"_s},
                                   {u"--theme=sepia"_s},
                                   {u"--scale=0"_s},
                                   {u"--scale=nan"_s},
                                   {u"--scale=wide"_s},
                                   {u"--size=800"_s},
                                   {u"--size=800x-1"_s},
                                   {u"--size=axb"_s},
                                   {u"--unknown"_s}}) {
        const auto options = GalleryOptions::parse(bad);
        ASSERT_FALSE(options.has_value()) << bad.join(u' ').toStdString();
        EXPECT_FALSE(options.error().isEmpty());
    }
}

TEST(Gallery, StaysOnItsPageWhenAskedForOneThatIsNotThere)
{
    Gallery &gallery = Gallery::instance();
    gallery.setPage(u"LKButton"_s);
    gallery.setPage(u"Nowhere"_s);
    EXPECT_EQ(gallery.page(), u"LKButton"_s);
}
