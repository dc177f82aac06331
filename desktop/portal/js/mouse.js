// SPDX-License-Identifier: Apache-2.0
/* A PC has a mouse: what carries data-action starts that action when it is clicked. */
document.addEventListener('click', function (event) {
    'use strict';

    var element = event.target;
    while (element && element.getAttribute) {
        if (element.getAttribute('data-action')) {
            Actions.run(element.getAttribute('data-action'));
            return;
        }
        element = element.parentNode;
    }
});
