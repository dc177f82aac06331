// SPDX-License-Identifier: Apache-2.0
/* The favourite entry, which a page of its own chooses. */
var Favourites = (function () {
    'use strict';

    // The box treats a page as one of settings by this part of its address.
    var address = 'external/settings/favourites.html';

    return {
        /* Opens the page over this one; on the box it gets a view of its own. */
        open: function () {
            var link = document.createElement('a');
            link.href = address;
            if (!Box.isPresent()) {
                window.location.href = link.href;
                return;
            }
            Box.windows('openWebFavorites', link.href, 0);
        },
        /* The favourite as the settings were last read; the first entry where there is none. */
        entry: function () {
            return Entries.filter(function (entry) {
                return Settings.withoutBlanks(entry.title) === Settings.value('favourite');
            })[0] || Entries[0];
        },
        startsPlaying: function () {
            return Settings.value('favourite_autostart') === 'yes';
        }
    };
}());
