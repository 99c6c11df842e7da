"""What an empty table claims: that nothing was found only when that is known."""
from window_case import WindowCase, text, wait_until


class AllClear(WindowCase):
    def claim(self):
        """What the current table says instead of rows."""
        return next((description for role, _, description in self.tree() if role == "table"), None)

    def wait_claim(self, key):
        wait_until(lambda: self.claim() == text(key), f"{key}, not {self.claim()!r}")

    def warnings(self):
        return self.details.count(r'^WARN ".*/file_states\.log is there and cannot be read')

    def raw_threats(self, content):
        """A batch whose list of threats is exactly that."""
        self.reported_agent.tell_all('raw-file header.log {"MessageMask":1}',
                                     f"raw-file file_states.log {content}",
                                     "post timer.aggregated_messages")

    def test_an_agent_that_left_no_list_is_none(self):
        self.open_window()
        self.wait_claim("HPS_EmptyNotRead")

    def test_a_list_without_threats_is_one(self):
        self.open_window()
        self.raw_threats("{}")
        self.wait_claim("HPS_EmptyThreats")

    def test_a_list_that_cannot_be_read_is_none_and_warned_of_once_a_change(self):
        self.open_window()
        self.raw_threats('{"cut":')
        self.wait_claim("HPS_EmptyUnreadable")
        self.reported_agent.tell_all("post timer.aggregated_messages",
                                     "post timer.aggregated_messages")
        self.raw_threats("{}")
        self.wait_claim("HPS_EmptyThreats")  # all before was heard, too
        self.assertEqual(self.warnings(), 1)
        self.raw_threats('{"cut again":')
        self.wait_claim("HPS_EmptyUnreadable")
        self.assertEqual(self.warnings(), 2)

    def test_while_the_agent_is_away_there_is_none(self):
        self.open_window()
        self.raw_threats("{}")
        self.wait_claim("HPS_EmptyThreats")
        self.reported_agent.tell("release-name")
        self.wait_claim("HPS_EmptyAgentAway")
        self.reported_agent.tell("take-name")
        self.wait_claim("HPS_EmptyThreats")
        self.reported_agent.tell("stop")
        self.wait_claim("HPS_EmptyAgentAway")
        self.reported_agent.tell("start")
        self.wait_claim("HPS_EmptyThreats")
        self.reported_agent.kill()
        self.wait_claim("HPS_EmptyAgentAway")

    def test_a_start_without_an_agent_is_none(self):
        self.raw_threats("{}")
        self.reported_agent.kill()
        self.details.__exit__(None, None, None)
        self.details = self.program()
        self.status_item = self.item(self.details)
        self.open_window()
        self.wait_claim("HPS_EmptyAgentAway")
        self.assertNotIn(text("HPS_EmptyThreats"), self.read("tree"))
