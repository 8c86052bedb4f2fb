// Ring by ring, the edges that have a length, each linked to the next and the last to the first.
#include <gauge/internal/edge_links.h>

gx_EdgeLinks::gx_EdgeLinks(const gx_EdgeTree& tree)
    : before(tree.edges().size()), after(tree.edges().size()) {
  const std::vector<gx_Edge>& edges = tree.edges();
  std::vector<std::size_t> ring;
  for (std::size_t k = 0; k < edges.size(); ++k) {
    if (!(edges[k].a == edges[k].b)) ring.push_back(k);
    if (k + 1 < edges.size() && edges[k + 1].ring == edges[k].ring) continue;
    for (std::size_t i = 0; i < ring.size(); ++i) {
      const std::size_t next = ring[(i + 1) % ring.size()];
      after[ring[i]] = next;
      before[next] = ring[i];
    }
    ring.clear();
  }
}
