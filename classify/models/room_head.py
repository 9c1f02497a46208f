"""The head: standardised features, one hidden layer beside a linear map, a probability for each scene."""
import numpy
import torch

from room_data import BINS, FEATURES, NOTHING

OUTPUTS = len(BINS) + 1
HIDDEN = 128
CLIP = 5.0  # standard deviations; what lies beyond says no more


class Scaling:
    """Each feature's mean and spread over the photos trained on. Square roots tame the features' long tails."""

    def __init__(self, features):
        values = self.root(features)
        self.mean = values.mean(axis=0)
        self.spread = values.std(axis=0) + 0.02

    @staticmethod
    def root(features):
        return numpy.sign(features) * numpy.sqrt(numpy.abs(features))

    def __call__(self, features):
        return numpy.clip((self.root(features) - self.mean) / self.spread, -CLIP, CLIP).astype(numpy.float32)


class Head(torch.nn.Module):
    def __init__(self, hidden=HIDDEN):
        super().__init__()
        self.hidden = torch.nn.Linear(FEATURES, hidden)
        self.out = torch.nn.Linear(hidden, OUTPUTS)

    def forward(self, x, dropout=0.0):
        x = torch.nn.functional.dropout(x, dropout * 0.4, self.training)
        x = torch.relu(self.hidden(x))
        return self.out(torch.nn.functional.dropout(x, dropout, self.training))


def train(inputs, targets, weights, seed, steps=1000, batch=192, rate=1e-3, decay=0.1, dropout=0.5, smoothing=0.05):
    """Draws rows by weight. targets: one row of probabilities for each row of inputs."""
    torch.manual_seed(seed)
    generator = numpy.random.default_rng(seed)
    head = Head()
    optimiser = torch.optim.AdamW(head.parameters(), lr=rate, weight_decay=decay)
    schedule = torch.optim.lr_scheduler.OneCycleLR(optimiser, rate, total_steps=steps, pct_start=0.1)
    share = numpy.cumsum(weights / weights.sum())
    inputs = torch.from_numpy(inputs)
    targets = torch.from_numpy(targets.astype(numpy.float32))
    head.train()
    for _ in range(steps):
        rows = torch.from_numpy(numpy.searchsorted(share, generator.random(batch)).clip(0, len(inputs) - 1))
        x, t = inputs[rows], targets[rows] * (1 - smoothing) + smoothing / OUTPUTS
        loss = -(torch.log_softmax(head(x, dropout), dim=1) * t).sum(dim=1).mean()
        optimiser.zero_grad()
        loss.backward()
        optimiser.step()
        schedule.step()
    head.eval()
    return head


def logits(head, inputs):
    with torch.no_grad():
        return head(torch.from_numpy(inputs)).numpy().astype(numpy.float64)


def fit_linear(inputs, targets, weights, penalty=0.6):
    """Weights (a row for each scene) and bias of the map that comes closest to the targets, in weighted squares.

    It errs elsewhere than a hidden layer does: together they are better than either.
    """
    share = (weights / weights.sum()).astype(numpy.float32)
    wide = numpy.concatenate([inputs, numpy.ones((len(inputs), 1), numpy.float32)], axis=1)
    weighted = wide * share[:, None]
    normal = (wide.T @ weighted).astype(numpy.float64)
    normal[numpy.arange(FEATURES), numpy.arange(FEATURES)] += penalty
    solution = numpy.linalg.solve(normal, (weighted.T @ targets).astype(numpy.float64))
    return solution[:-1].T, solution[-1]


def softmax(values):
    values = numpy.exp(values - values.max(axis=1, keepdims=True))
    return values / values.sum(axis=1, keepdims=True)


def one_hot(bins):
    """Rows of bin -1 show nothing."""
    targets = numpy.zeros((len(bins), OUTPUTS), numpy.float32)
    targets[numpy.arange(len(bins)), numpy.where(bins < 0, NOTHING, bins)] = 1.0
    return targets
