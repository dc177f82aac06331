# SPDX-License-Identifier: Apache-2.0
"""The demo portal's own suite; copy it and put your portal's pages in their place."""
from selenium.webdriver.common.by import By
from selenium.webdriver.support.ui import WebDriverWait


def rows(box):
    return [row.text for row in box.find_elements(By.CSS_SELECTOR, "#eventRows .event_row")]


def test_menu_lists_what_can_be_played(box):
    titles = [item.text for item in box.find_elements(By.CSS_SELECTOR, "#entryList li")]
    assert any("First light" in title for title in titles)
    assert box.find_element(By.ID, "boxState").text == "box connected"


def test_ok_plays_the_first_clip(box):
    box.find_element(By.CSS_SELECTOR, "#entryList li")
    box.press("ok")
    box.wait_until_playing()
    assert any("/media/demo/first.ts" in command for command in box.commands())


def test_red_hides_the_event_log(box):
    body = box.find_element(By.TAG_NAME, "body")
    assert "log_shown" in body.get_attribute("class")
    box.press("red")
    assert "log_shown" not in body.get_attribute("class")


def test_storage_is_announced(box):
    box.find_element(By.CSS_SELECTOR, "#entryList li")
    box.receiver("usb mount")
    WebDriverWait(box, 5).until(lambda b: any("storage.mount" in row for row in rows(b)))


def test_no_script_of_the_portal_fails(box):
    box.press("down", times=3)
    box.press("ok")
    box.press("back")
    assert [m for m in box.messages() if m["level"] == "error"] == []
