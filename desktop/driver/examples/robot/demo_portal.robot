*** Comments ***
SPDX-License-Identifier: Apache-2.0

*** Settings ***
Documentation     The demo portal through Robot Framework; copy it for a portal of your own.
...               Needs: pip install robotframework robotframework-seleniumlibrary
Library           SeleniumLibrary    implicit_wait=5
Library           BoxLibrary.py
Test Setup        Open Box    ${PORTAL}
Test Teardown     Close Browser

*** Variables ***
${PORTAL}         file://${CURDIR}/../../../portal/index.html

*** Test Cases ***
OK Plays The First Clip
    Page Should Contain Element    css:#entryList li
    Press Remote    ok
    Wait Until Playing
    Receiver Should Have Got    /media/demo/first.ts

Storage Is Announced
    Page Should Contain Element    css:#entryList li
    Type Into Receiver    usb mount
    Wait Until Element Contains    id:eventRows    storage.mount
