"""What people do to the page of a fleet, without the time that their keys take."""

# As somebody types the name of machines, and takes it back.
FILTERS = ("b", "bl", "blade", "")
# One for each click on the same heading.
ORDERS = ("ascending", "descending", "ascending again")

def filter_by(browser, text):
    browser.run("filter.value = arguments[0]; filter.dispatchEvent(new Event('input'))", text)


def click_first_heading(browser):
    browser.run("document.querySelector('thead button').click()")


def lay_out(browser):
    """Returns when the page is as it will be seen."""
    browser.run("document.body.offsetHeight")
